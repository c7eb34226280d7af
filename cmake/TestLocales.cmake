# The locales that tests run in, compiled into the build folder, so that no system needs to have them. A test
# that uses one takes ENVIRONMENT LOCPATH=${KORVEL_TEST_LOCALES}; de_DE and ru_RU write decimals with a comma.
set(KORVEL_TEST_LOCALES ${PROJECT_BINARY_DIR}/locales)
foreach(name de_DE ru_RU ar_EG)
    if(NOT EXISTS ${KORVEL_TEST_LOCALES}/${name}.UTF-8/LC_NUMERIC)
        file(MAKE_DIRECTORY ${KORVEL_TEST_LOCALES})
        execute_process(COMMAND localedef --quiet -i ${name} -f UTF-8 ${KORVEL_TEST_LOCALES}/${name}.UTF-8
            COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
