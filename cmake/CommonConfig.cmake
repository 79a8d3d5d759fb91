# One interface target carries the language standard, the warnings and the toolkit's strictness;
# every target of the project links it.
add_library(serimonde_common INTERFACE)

target_compile_features(serimonde_common INTERFACE cxx_std_20)

target_compile_options(serimonde_common INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Woverloaded-virtual)
option(SERIMONDE_WERROR "Treat warnings as errors" ON)
if(SERIMONDE_WERROR)
    target_compile_options(serimonde_common INTERFACE -Werror)
endif()

target_compile_definitions(serimonde_common INTERFACE
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

set(SERIMONDE_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")
if(SERIMONDE_SANITIZE)
    target_compile_options(serimonde_common INTERFACE
        -fsanitize=${SERIMONDE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(serimonde_common INTERFACE -fsanitize=${SERIMONDE_SANITIZE})
endif()

# What users run is hardened as Debian hardens its own programs.
target_compile_options(serimonde_common INTERFACE
    "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2;-fstack-protector-strong;-Wformat=2>")
target_link_options(serimonde_common INTERFACE
    "$<$<CONFIG:Release>:-pie;-Wl,-z,relro,-z,now>")

# serimonde_library(FOLDER SOURCES...): the library of a folder under src, without what it may see.
function(serimonde_library folder)
    add_library(serimonde_${folder} STATIC ${ARGN})
    target_include_directories(serimonde_${folder} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(serimonde_${folder} PUBLIC serimonde_common Qt6::Core)
    # The link line is complete at the folder's end; the name would then be forgotten.
    cmake_language(EVAL CODE
        "cmake_language(DEFER CALL serimonde_choose_headers serimonde_${folder})")
endfunction()
