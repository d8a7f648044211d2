# 32-bit Arm, the kind of device that the libraries are for (Debian armhf: ARMv7-A, VFPv3-D16, hard float).
set(CMAKE_SYSTEM_PROCESSOR arm)
set(EZ_TARGET arm-linux-gnueabihf)
set(EZ_EMULATOR qemu-arm)
# Before 7, g++ passed some arguments otherwise on Arm; nothing older is linked, and it need not say so.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
include(${CMAKE_CURRENT_LIST_DIR}/emulated.cmake)
