# `cmake --install` makes the folder that is handed out: libraries, hosts and the headers for hosts.

install(TARGETS StartupManagerHelper basekit prefkit raterkit guardkit tracekit startupctl
        RUNTIME DESTINATION .)
install(FILES
        src/infra/boundary_string.h src/infra/intf_DebugLog.h src/infra/intf_FileRater.h
        src/infra/intf_general.h src/infra/intf_safeguard.h src/infra/intf_settings.h
        DESTINATION include/infra)
install(FILES src/core/StartupManagerHelper.h DESTINATION include/core)
