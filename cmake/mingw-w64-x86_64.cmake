# Cross-builds the Windows programs on Debian with mingw-w64 (posix threads model, so that
# std::thread works). The libraries built by scripts/mingw-deps.sh are found through
# KOVIX_MINGW_PREFIX (passed on the command line or taken from the environment).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triple x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

if(NOT KOVIX_MINGW_PREFIX AND DEFINED ENV{KOVIX_MINGW_PREFIX})
    set(KOVIX_MINGW_PREFIX $ENV{KOVIX_MINGW_PREFIX})
endif()
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${KOVIX_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One self-contained .exe each: no libstdc++, libgcc or winpthread DLL beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

# FindwxWidgets asks wx-config; the host's one would describe the GTK build.
if(KOVIX_MINGW_PREFIX)
    set(wxWidgets_CONFIG_EXECUTABLE ${KOVIX_MINGW_PREFIX}/bin/wx-config)
endif()
