# `cmake --install` makes the folder that is handed out: libraries, hosts and the headers for hosts.

set(PRODUCT_TARGETS StartupManagerHelper basekit prefkit raterkit guardkit tracekit startupctl startupmanager startupicons)
# Everything that is handed out and nothing else: no tests, no samples.
add_custom_target(product DEPENDS ${PRODUCT_TARGETS})

install(TARGETS ${PRODUCT_TARGETS} RUNTIME DESTINATION .)
set(HOST_HEADERS
    StartupManagerHelper.h boundary_string.h intf_DebugLog.h intf_FileRater.h intf_FileTrust.h intf_general.h
    intf_journal.h intf_safeguard.h intf_settings.h location_rows.h location_table.h)
list(TRANSFORM HOST_HEADERS PREPEND src/core/contracts/)
install(FILES ${HOST_HEADERS} DESTINATION include/core/contracts)
