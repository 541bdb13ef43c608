# The linker options a build gets for each kind of binary: RELRO and
# BIND_NOW where the linker is ELF's, and none of ELF's -z options where
# it is Apple's (which rejects them). cmake -P tests/packaging/hardening.cmake
include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/Hardening.cmake)
calloquin_hardening_link_options(ELF elf)
if(NOT elf STREQUAL "LINKER:-z,relro;LINKER:-z,now")
  message(FATAL_ERROR "an ELF link gets: ${elf}")
endif()
calloquin_hardening_link_options(MACHO macho)
if(macho MATCHES "-z")
  message(FATAL_ERROR "a Mach-O link gets ELF's options: ${macho}")
endif()
