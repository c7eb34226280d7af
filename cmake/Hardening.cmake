# What compiler and linker add so that a memory error ends a program instead of being made use of. Not with
# sanitizers, which find the errors themselves and whose interceptors the checked functions would pass by.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

check_pie_supported() # otherwise programs are only compiled, but not linked, as position-independent

# korvel_fortify_level(VARIABLE): the highest level of checked functions that compiler and C library offer for this
# type of build; 0 without optimisation, which the C library needs and otherwise warns of.
function(korvel_fortify_level variable)
    set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
    set(CMAKE_REQUIRED_QUIET ON)
    foreach(level 3 2)
        set(CMAKE_REQUIRED_FLAGS "-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level} -Werror")
        check_cxx_source_compiles("
            #include <cstdlib>
            #if !defined(__USE_FORTIFY_LEVEL) || __USE_FORTIFY_LEVEL < ${level}
            #error not offered
            #endif
            int main() {}" KORVEL_FORTIFY_${level}_${CMAKE_BUILD_TYPE})
        if(KORVEL_FORTIFY_${level}_${CMAKE_BUILD_TYPE})
            set(${variable} ${level} PARENT_SCOPE)
            return()
        endif()
    endforeach()
    set(${variable} 0 PARENT_SCOPE)
endfunction()

# korvel_harden(TARGET): adds the settings to those that a target hands on.
function(korvel_harden target)
    target_compile_options(${target} INTERFACE -fstack-protector-strong)
    foreach(flag -fstack-clash-protection -fcf-protection=full) # not on each processor
        string(MAKE_C_IDENTIFIER KORVEL_HAS${flag} offered)
        check_cxx_compiler_flag(${flag} ${offered})
        if(${offered})
            target_compile_options(${target} INTERFACE ${flag})
        endif()
    endforeach()
    korvel_fortify_level(level)
    if(level)
        # A distribution's compiler may have a level of its own.
        target_compile_options(${target} INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level})
    endif()
    # All symbols are bound when a program starts, and the table of their addresses is read-only afterwards.
    target_link_options(${target} INTERFACE LINKER:-z,relro,-z,now)
endfunction()
