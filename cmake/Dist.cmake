# The release tarball, made by `cmake --build --preset release --target dist`
# (cmake -DSOURCE=... -DOUT=... -DPREFIX=... -P cmake/Dist.cmake): the
# sources of the commit checked out, nothing built, the same bytes from one
# commit wherever and whenever it is made. git archive gives each file the
# commit's time, the tree's sorted order, owner and group 0 and one tar
# format; the modes are pinned here (git's default umask would depend on
# its configuration), and xz runs on one thread, whose output doesn't
# depend on the machine.
find_program(GIT git)
find_program(XZ xz)
if(NOT GIT OR NOT XZ OR NOT EXISTS "${SOURCE}/.git")
  message(FATAL_ERROR "dist makes the tarball from a git checkout, with git and xz installed")
endif()
execute_process(COMMAND ${GIT} -C ${SOURCE} status --porcelain --untracked-files=no OUTPUT_VARIABLE dirty)
if(dirty)
  message(WARNING "dist: the tarball holds the last commit; the changes not committed are left out")
endif()
execute_process(
  COMMAND ${GIT} -C ${SOURCE} -c tar.umask=0022 archive --format=tar --prefix=${PREFIX}/ HEAD
  COMMAND ${XZ} --threads=1 -6 --stdout
  OUTPUT_FILE ${OUT}
  RESULT_VARIABLE failed)
if(failed)
  file(REMOVE ${OUT})
  message(FATAL_ERROR "dist: git archive or xz failed")
endif()
execute_process(COMMAND ${GIT} -C ${SOURCE} rev-parse HEAD OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE)
message(STATUS "dist: ${OUT} from ${commit}")
