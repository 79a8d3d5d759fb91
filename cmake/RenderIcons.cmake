# The picture plug-in of the toolkit draws the icons while building, so that no further tool is
# needed, and the program need not load it.
add_executable(render_icon "${CMAKE_CURRENT_LIST_DIR}/RenderIcon.cpp")
target_compile_features(render_icon PRIVATE cxx_std_20)
target_link_libraries(render_icon PRIVATE Qt6::Gui) # no sanitizer: it would judge the toolkit

# serimonde_render_icon(RESULT SVG TARGET SIZE...): the drawing in each size in pixels, which "@"
# in TARGET stands for; adds the files to the list RESULT.
function(serimonde_render_icon result svg target)
    set(files)
    foreach(size ${ARGN})
        string(REPLACE "@" "${size}" file "${target}")
        list(APPEND files "${file}")
    endforeach()
    cmake_path(GET svg STEM name)
    add_custom_command(OUTPUT ${files}
        COMMAND render_icon "${svg}" "${target}" ${ARGN}
        DEPENDS "${svg}"
        COMMENT "Drawing ${name}"
        VERBATIM)
    set(${result} ${${result}} ${files} PARENT_SCOPE)
endfunction()
