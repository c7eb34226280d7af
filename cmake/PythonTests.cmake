include(${CMAKE_CURRENT_LIST_DIR}/Python.cmake)

# korvel_python_tests(PREFIX FILE [ENVIRONMENT VAR=value...] [TIMEOUT SECONDS]): each method test_* of the unittest
# classes in FILE is a test of its own, PREFIX.Class.method. FILE's own folder is on the path of its imports. A test that
# raises unittest.SkipTest, for what a machine may lack, is reported as skipped, not as passed.
function(korvel_python_tests prefix file)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "TIMEOUT" "ENVIRONMENT")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    get_filename_component(module ${file} NAME_WE)
    file(STRINGS ${file} lines REGEX "^(class |    def test_)")
    set(class "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^class ([A-Za-z0-9_]+)")
            set(class ${CMAKE_MATCH_1})
        elseif(line MATCHES "^    def (test_[A-Za-z0-9_]+)")
            set(method ${CMAKE_MATCH_1})
            string(REGEX REPLACE "^test_" "" behaviour ${method})
            add_test(NAME ${prefix}.${class}.${behaviour}
                COMMAND ${KORVEL_PYTHON} -B -m unittest ${module}.${class}.${method}
                WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
            set_tests_properties(${prefix}.${class}.${behaviour} PROPERTIES
                TIMEOUT ${arg_TIMEOUT}
                SKIP_REGULAR_EXPRESSION "\\(skipped=[0-9]+\\)"
                ENVIRONMENT "PYTHONUTF8=1;KORVEL_SOURCE_DIR=${PROJECT_SOURCE_DIR};${arg_ENVIRONMENT}")
        endif()
    endforeach()
endfunction()
