# calloquin_hardening_link_options(<executable format> <out var>): the
# hardening options for the linker of that format. Relocations read-only
# and bound at start (RELRO, BIND_NOW) are ELF's: Apple's linker has no
# -z and rejects it, and Mach-O binds lazily pointers it protects anyway.
function(calloquin_hardening_link_options format out)
  if(format STREQUAL "ELF")
    set(${out} "LINKER:-z,relro" "LINKER:-z,now" PARENT_SCOPE)
  else()
    set(${out} "" PARENT_SCOPE)
  endif()
endfunction()
