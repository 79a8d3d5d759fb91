# Debian's changelog and the day of the release, from CHANGELOG.md. A version that is not released
# yet has the day of the build; SOURCE_DATE_EPOCH, if set, takes the place of the clock.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/CHANGELOG.md")
file(READ "${PROJECT_SOURCE_DIR}/CHANGELOG.md" changes)

string(REGEX MATCHALL "\n## [^\n]+" headings "${changes}")
set(debian_changelog "")
foreach(heading ${headings})
    if(NOT heading MATCHES "^\n## ([0-9]+[.][0-9]+[.][0-9]+) \\(([0-9-]+|unreleased)\\)$")
        message(FATAL_ERROR "CHANGELOG.md: no version and day in \"${heading}\"")
    endif()
    set(version ${CMAKE_MATCH_1})
    if(CMAKE_MATCH_2 STREQUAL "unreleased")
        string(TIMESTAMP time "%a, %d %b %Y %H:%M:%S +0000" UTC)
        string(TIMESTAMP day "%Y-%m-%d" UTC)
    else()
        set(day ${CMAKE_MATCH_2})
        execute_process(COMMAND date --utc --rfc-email "--date=${day}" OUTPUT_VARIABLE time
            OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    endif()
    if(debian_changelog STREQUAL "")
        if(NOT version VERSION_EQUAL PROJECT_VERSION)
            message(FATAL_ERROR "CHANGELOG.md begins with ${version}, not ${PROJECT_VERSION}")
        endif()
        set(release_day ${day})
    endif()

    # The section's items, down to the next heading.
    string(FIND "${changes}" "${heading}" begin)
    string(LENGTH "${heading}" length)
    math(EXPR begin "${begin} + ${length}")
    string(SUBSTRING "${changes}" ${begin} -1 changes)
    string(FIND "${changes}" "\n## " end)
    string(SUBSTRING "${changes}" 0 ${end} items)
    string(REGEX REPLACE "\n  " "\n    " items "${items}")
    string(REGEX REPLACE "\n- " "\n  * " items "${items}")
    string(REGEX REPLACE "^\n+|\n+$" "" items "${items}")

    string(APPEND debian_changelog "serimonde (${version}) unstable; urgency=medium\n\n${items}\n\n"
        " -- The Serimonde developers <${SERIMONDE_EMAIL}>  ${time}\n\n")
endforeach()
string(STRIP "${debian_changelog}" debian_changelog)
file(CONFIGURE OUTPUT changelog CONTENT "${debian_changelog}\n" @ONLY)
