# A big-endian machine: nobody's target, but what reads numbers wrongly shows here.
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(EZ_TARGET s390x-linux-gnu)
set(EZ_EMULATOR qemu-s390x)
include(${CMAKE_CURRENT_LIST_DIR}/emulated.cmake)
