# calloquin_layer(<target> <folder>...): the headers of each folder are
# reached as "<name>/X.h" (name: the folder's own name) by the target and by
# whatever links it, and by nothing else. Each folder gets an include root
# of its own that holds only a link to it, so an include from a layer that a
# target doesn't link fails to compile instead of linking by accident.
function(calloquin_layer target)
  foreach(folder IN LISTS ARGN)
    get_filename_component(name "${folder}" NAME)
    set(root "${CMAKE_BINARY_DIR}/layers/${name}")
    if(NOT EXISTS "${root}/${name}")
      file(MAKE_DIRECTORY "${root}")
      file(CREATE_LINK "${folder}" "${root}/${name}" SYMBOLIC)
    endif()
    target_include_directories(${target} PUBLIC "${root}")
  endforeach()
endfunction()
