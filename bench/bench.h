// The benchmark library as all benchmark programs use it.
#pragma once

#define CATCH_CONFIG_ENABLE_BENCHMARKING
#include <catch2/catch.hpp>
