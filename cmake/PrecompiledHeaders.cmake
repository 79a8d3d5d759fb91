# Headers of the toolkit and of the standard library, compiled once for each kind of target. They
# hold nothing of the project: what a folder may include is still said by its link line alone.
option(SERIMONDE_PRECOMPILE "Precompile the headers of the toolkit" ON)

# A compiler cache wants to see which precompiled header was read, and no time in it.
if(SERIMONDE_PRECOMPILE AND CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache")
    target_compile_options(serimonde_common INTERFACE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endif()

set(headers_core
    <QByteArray> <QDir> <QFile> <QFileInfo> <QHash> <QList> <QMap> <QObject> <QString> <QStringList>
    <QTimer> <algorithm> <array> <functional> <memory> <optional> <span> <utility> <vector>)
set(headers_widgets ${headers_core}
    <QApplication> <QComboBox> <QDialog> <QKeyEvent> <QLabel> <QLayout> <QLineEdit> <QMenu>
    <QPainter> <QPushButton> <QStyle>)

# serimonde_headers(KIND BASE LIBRARY...): precompiles BASE's headers and those in angle brackets
# among the LIBRARYs for targets that link the others.
function(serimonde_headers kind base)
    if(NOT SERIMONDE_PRECOMPILE)
        return()
    endif()
    set(source "${CMAKE_CURRENT_BINARY_DIR}/headers_${kind}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "")
    add_library(serimonde_headers_${kind} OBJECT "${source}")
    set_target_properties(serimonde_headers_${kind} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    set(headers ${headers_${base}} ${ARGN})
    set(libraries ${ARGN})
    list(FILTER headers INCLUDE REGEX "^<")
    list(FILTER libraries EXCLUDE REGEX "^<")
    target_link_libraries(serimonde_headers_${kind} PRIVATE serimonde_common ${libraries})
    target_precompile_headers(serimonde_headers_${kind} PRIVATE ${headers})
endfunction()

# serimonde_use_headers(TARGET KIND): TARGET takes the precompiled headers of KIND.
function(serimonde_use_headers target kind)
    if(SERIMONDE_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM serimonde_headers_${kind})
    endif()
endfunction()

# serimonde_choose_headers(TARGET): the kind that suits TARGET's link line.
function(serimonde_choose_headers target)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    if("Qt6::Widgets" IN_LIST libraries OR "Qt6::PrintSupport" IN_LIST libraries)
        serimonde_use_headers(${target} widgets)
    else()
        serimonde_use_headers(${target} core)
    endif()
endfunction()
