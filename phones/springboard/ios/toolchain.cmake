# Clang for an iOS device, on Debian.
#
#   NOCTARA_IOS_ARCH   arm64 (the default), or armv7, which can be compiled but not linked
#   NOCTARA_IOS_SDK    the folder of Apple's SDK for iOS; without it, the folder `sdk` beside this file
set(NOCTARA_IOS_ARCH arm64 CACHE STRING "arm64 or armv7")
set(NOCTARA_IOS_SDK "" CACHE PATH "Apple's SDK for iOS; empty for the headers and stubs of this folder")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES NOCTARA_IOS_ARCH NOCTARA_IOS_SDK)

# The oldest system whose libraries are known to export everything that the library imports.
set(NOCTARA_IOS_MINIMUM 9.3)

# CMake's own support of iOS needs Xcode.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR ${NOCTARA_IOS_ARCH})
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

find_program(NOCTARA_CLANG clang++-14 REQUIRED)
set(CMAKE_CXX_COMPILER ${NOCTARA_CLANG})
set(CMAKE_OBJCXX_COMPILER ${NOCTARA_CLANG})
set(CMAKE_CXX_COMPILER_TARGET ${NOCTARA_IOS_ARCH}-apple-ios${NOCTARA_IOS_MINIMUM})
set(CMAKE_OBJCXX_COMPILER_TARGET ${CMAKE_CXX_COMPILER_TARGET})
