# The import table of the 64-bit programs, by hand: the cross compiler's import libraries are 32-bit ones.

.macro imported name
  .section .idata$6,"dw"
.Lhint_\name:
  .short 0
  .asciz "\name"
  .balign 2
  .section .idata$4,"dw"
  .rva .Lhint_\name
  .long 0
  .section .idata$5,"dw"
  .globl __imp_\name
__imp_\name:
  .rva .Lhint_\name
  .long 0
.endm

.macro library name
  .section .idata$7,"dw"
.Lfile_\name:
  .asciz "\name\().dll"
  .section .idata$4,"dw"
  .balign 8
.Llookup_\name:
  .section .idata$5,"dw"
  .balign 8
.Laddresses_\name:
  .section .idata$2,"dw"
  .rva .Llookup_\name
  .long 0, 0
  .rva .Lfile_\name, .Laddresses_\name
.endm

.macro end_library
  .section .idata$4,"dw"
  .quad 0
  .section .idata$5,"dw"
  .quad 0
.endm

library kernel32
imported CloseHandle
imported CreateFileW
imported CreateProcessW
imported ExitProcess
imported ExpandEnvironmentStringsW
imported GetCommandLineW
imported GetEnvironmentVariableW
imported GetFileSize
imported GetModuleFileNameW
imported GetProcessHeap
imported HeapAlloc
imported ReadFile
imported SetEnvironmentVariableW
imported TerminateProcess
imported WaitForSingleObject
imported WriteFile
imported lstrcpynW
imported lstrlenW
end_library

library shell32
imported CommandLineToArgvW
imported ShellExecuteExW
end_library

library ole32
imported CoInitializeEx
end_library

.section .idata$2,"dw"
.long 0, 0, 0, 0, 0
