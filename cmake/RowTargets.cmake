# The targets of the row renderer besides the scalar one, which is always in: rows_<target>.cpp and its flags.

# zam_row_targets(PROCESSOR VARIABLE)
function(zam_row_targets processor variable)
    if(processor MATCHES "x86_64|AMD64")
        set(${variable} avx2 avx512 PARENT_SCOPE)
    elseif(processor MATCHES "aarch64|arm64|ARM64")
        set(${variable} neon PARENT_SCOPE)
    else()
        set(${variable} "" PARENT_SCOPE)
    endif()
endfunction()
zam_row_targets("${CMAKE_SYSTEM_PROCESSOR}" ZAM_ALL_ROW_TARGETS)
set(ZAM_ROW_TARGETS "${ZAM_ALL_ROW_TARGETS}" CACHE STRING "Row targets to compile in besides scalar, the widest last")

foreach(target ${ZAM_ROW_TARGETS})
    if(NOT target IN_LIST ZAM_ALL_ROW_TARGETS)
        message(FATAL_ERROR "ZAM_ROW_TARGETS: '${target}' is no row target of a ${CMAKE_SYSTEM_PROCESSOR} processor; "
                            "there are: ${ZAM_ALL_ROW_TARGETS}")
    endif()
endforeach()

# Unoptimised, clang leaves constructors that the linker could hand to another processor.
set(own_code $<$<CONFIG:Debug>:-O1>)
set(ZAM_FLAGS_avx2 -mavx2 -mfma ${own_code})
# GCC 12 takes the undefined operands inside its own intrinsics for uninitialised variables.
set(ZAM_FLAGS_avx512 -mavx2 -mfma -mavx512f -mavx512dq -mavx512vl ${own_code} -Wno-uninitialized
                     $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
set(ZAM_FLAGS_neon "")  # what every arm64 processor has
