# One interface target carries the language level, warnings and Qt settings for all code.
add_library(vantrel_config INTERFACE)
target_compile_features(vantrel_config INTERFACE cxx_std_20)
target_compile_options(vantrel_config INTERFACE -Wall -Wextra)
target_compile_definitions(vantrel_config INTERFACE
    QT_NO_CONTEXTLESS_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060000)
