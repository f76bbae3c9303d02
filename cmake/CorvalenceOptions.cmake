# How the project's own code is compiled. Everything built here links corvalence_options privately, so that
# a program which uses the libraries is not made to share the choices.
add_library(corvalence_options INTERFACE)
target_compile_features(corvalence_options INTERFACE cxx_std_20)
target_compile_definitions(corvalence_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_KEYWORDS
    QT_NO_URL_CAST_FROM_STRING
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(MSVC)
    target_compile_options(corvalence_options INTERFACE /W4 /utf-8)
    if(CORVALENCE_WARNINGS_AS_ERRORS)
        target_compile_options(corvalence_options INTERFACE /WX)
    endif()
else()
    target_compile_options(corvalence_options INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wdouble-promotion -Wnon-virtual-dtor -Wold-style-cast
        -Woverloaded-virtual -Wshadow
        # A fused multiply-add rounds once instead of twice; without it a tick has the same angle on every
        # processor.
        -ffp-contract=off)
    if(CORVALENCE_WARNINGS_AS_ERRORS)
        target_compile_options(corvalence_options INTERFACE -Werror)
    endif()
endif()
