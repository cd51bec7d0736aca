# Makes bugs harder to exploit; see docs/security.md. Tests in tests/hardening read the built files.

include(CheckCXXSourceCompiles)

# rallyvane_can_fortify(RESULT): whether the C library can check buffer sizes, which needs an
# optimising build.
function(rallyvane_can_fortify result)
    set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
    set(CMAKE_REQUIRED_DEFINITIONS -D_FORTIFY_SOURCE=2)
    check_cxx_source_compiles("
        #include <cstdlib>
        #if !defined(__USE_FORTIFY_LEVEL) || __USE_FORTIFY_LEVEL < 2
        #error
        #endif
        int main() {}" ${result})
    set(${result} ${${result}} PARENT_SCOPE)
endfunction()

if(WIN32)
    add_link_options(-Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)
elseif(NOT RALLYVANE_SANITIZE) # the sanitizers check more, in their own way
    add_compile_options(-fstack-protector-strong)
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
    rallyvane_can_fortify(RALLYVANE_FORTIFIED)
    if(RALLYVANE_FORTIFIED)
        add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endif()
endif()
