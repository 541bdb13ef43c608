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
find_program(TAR tar)
if(NOT XZ)
  message(FATAL_ERROR "dist needs xz")
endif()
if(EXISTS "${SOURCE}/.git")
  if(NOT GIT)
    message(FATAL_ERROR "dist makes the tarball of a git checkout with git")
  endif()
  execute_process(COMMAND ${GIT} -C ${SOURCE} status --porcelain --untracked-files=no OUTPUT_VARIABLE dirty)
  if(dirty)
    message(WARNING "dist: the tarball holds the last commit; the changes not committed are left out")
  endif()
  execute_process(COMMAND ${GIT} -C ${SOURCE} rev-parse HEAD OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(pack ${GIT} -C ${SOURCE} -c tar.umask=0022 archive --format=tar --prefix=${PREFIX}/ HEAD)
  set(what "git archive of ${commit}")
elseif(TAR)
  # Sources unpacked from a tarball: packed again as they are, build
  # folders left out, in the same pinned way (the files keep the times the
  # tarball gave them).
  set(pack ${TAR} --create --format=pax --pax-option=exthdr.name=%d/PaxHeaders/%f,delete=atime,delete=ctime
    --sort=name --owner=0 --group=0 --numeric-owner --mode=u+rw,go-w,a+rX
    --exclude=./build --exclude=./obj-* --exclude=./debian --transform=s|^\\.|${PREFIX}| -C ${SOURCE} .)
  set(what "tar of the sources in ${SOURCE}")
else()
  message(FATAL_ERROR "dist needs git (in a checkout) or tar")
endif()
execute_process(COMMAND ${pack} COMMAND ${XZ} --threads=1 -6 --stdout OUTPUT_FILE ${OUT} RESULT_VARIABLE failed)
if(failed)
  file(REMOVE ${OUT})
  message(FATAL_ERROR "dist: ${what} or xz failed")
endif()
message(STATUS "dist: ${OUT}, the ${what}")
