# A Mac's compiler on another system. check.py makes the wrappers in HALYARD_CROSS and the include folder beside them.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR $ENV{HALYARD_CROSS_PROCESSOR})
set(cross $ENV{HALYARD_CROSS})

set(CMAKE_C_COMPILER ${cross}/bin/cc)
set(CMAKE_CXX_COMPILER ${cross}/bin/c++)
set(CMAKE_AR ${cross}/bin/ar)
set(CMAKE_RANLIB ${cross}/bin/ranlib)
set(CMAKE_INSTALL_NAME_TOOL /bin/true)  # CMake insists on one; nothing is installed from here
set(CMAKE_OSX_SYSROOT "")

# Without debug information and checks of its own (this compiler adds them unasked): quick is what counts here.
set(CMAKE_CXX_FLAGS_INIT "-g0 -fno-sanitize=undefined")
set(CMAKE_CXX_LINKER_LAUNCHER python3 ${CMAKE_CURRENT_LIST_DIR}/link.py ${cross}/stubs)

# The system's own include folders are for its own programs.
set(CMAKE_FIND_ROOT_PATH ${cross})
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
