# `cmake --install` makes the folder that is handed out: libraries, hosts and the headers for hosts.

set(PRODUCT_TARGETS StartupManagerHelper basekit prefkit raterkit guardkit tracekit startupctl startupmanager)
# Everything that is handed out and nothing else: no tests, no samples.
add_custom_target(product DEPENDS ${PRODUCT_TARGETS})

install(TARGETS ${PRODUCT_TARGETS} RUNTIME DESTINATION .)
install(FILES
        src/infra/boundary_string.h src/infra/intf_DebugLog.h src/infra/intf_FileRater.h
        src/infra/intf_general.h src/infra/intf_journal.h src/infra/intf_safeguard.h
        src/infra/intf_settings.h
        DESTINATION include/infra)
install(FILES src/core/StartupManagerHelper.h DESTINATION include/core)
