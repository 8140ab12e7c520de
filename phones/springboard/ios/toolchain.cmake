# Clang for an iOS device, on Debian. NOCTARA_IOS_ARCH is arm64, or armv7, which can be compiled but
# not linked.
set(NOCTARA_IOS_ARCH arm64 CACHE STRING "arm64 or armv7")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES NOCTARA_IOS_ARCH)

# The oldest system whose libraries are known to export everything that the library imports. arm64
# phones began with 7.0, and the format of the library is that of 7.0.
set(NOCTARA_IOS_MINIMUM 9.3)

# CMake's own support of iOS needs Xcode.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR ${NOCTARA_IOS_ARCH})
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

find_program(NOCTARA_CLANG clang++-14 REQUIRED)
foreach(language CXX OBJCXX)
    set(CMAKE_${language}_COMPILER ${NOCTARA_CLANG})
    set(CMAKE_${language}_COMPILER_TARGET ${NOCTARA_IOS_ARCH}-apple-ios${NOCTARA_IOS_MINIMUM})
endforeach()
