# The targets of the row renderer besides the scalar one, which is always in: rows_<target>.cpp and its flags.

if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    set(ZAM_ALL_ROW_TARGETS avx2 avx512)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64|ARM64")
    set(ZAM_ALL_ROW_TARGETS neon)
else()
    set(ZAM_ALL_ROW_TARGETS "")
endif()
set(ZAM_ROW_TARGETS "${ZAM_ALL_ROW_TARGETS}" CACHE STRING "Row targets to compile in besides scalar, the widest last")

foreach(target ${ZAM_ROW_TARGETS})
    if(NOT target IN_LIST ZAM_ALL_ROW_TARGETS)
        message(FATAL_ERROR "ZAM_ROW_TARGETS: '${target}' is no row target of a ${CMAKE_SYSTEM_PROCESSOR} processor; "
                            "there are: ${ZAM_ALL_ROW_TARGETS}")
    endif()
endforeach()

set(ZAM_FLAGS_avx2 -mavx2 -mfma)
# GCC 12 takes the undefined operands inside its own intrinsics for uninitialised variables.
set(ZAM_FLAGS_avx512 -mavx2 -mfma -mavx512f -mavx512dq -mavx512vl -Wno-uninitialized -Wno-maybe-uninitialized)
set(ZAM_FLAGS_neon "")  # what every arm64 processor has
