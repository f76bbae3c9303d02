# Compiler options. All targets link corvalence_options privately, so that programs which use the libraries do not get
# these options.
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
        # No fused multiply-add: it rounds once instead of twice, and ticks would have other angles on some processors.
        -ffp-contract=off)
    if(CORVALENCE_WARNINGS_AS_ERRORS)
        target_compile_options(corvalence_options INTERFACE -Werror)
    endif()
endif()
