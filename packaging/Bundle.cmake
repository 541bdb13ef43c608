# The bundle's shape on macOS, settled before the folders that fill it: the
# executable in Calloquin.app/Contents/MacOS, so its sibling Resources folder
# is the bundle's own Contents/Resources, where the clips and the backdrop
# are made and installed.
if(APPLE)
  set(CALLOQUIN_BUNDLE_DIR ${CMAKE_BINARY_DIR}/Calloquin.app/Contents)
  set(CALLOQUIN_RESOURCES_DIR ${CALLOQUIN_BUNDLE_DIR}/Resources)
  set(CALLOQUIN_INSTALL_RESOURCESDIR "Calloquin.app/Contents/Resources" CACHE STRING
    "Where the clips and the backdrop are installed, relative to the prefix")
endif()
