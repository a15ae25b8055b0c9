# The reader of version records. It knows nothing of Windows, so that it is also built natively, under the
# sanitizers.
set(BASEKIT_FORMAT_SOURCES version_record.cpp)
