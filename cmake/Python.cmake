# The system's own Python first: packages of the system are for it.
find_program(KORVEL_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(KORVEL_PYTHON python3 REQUIRED)
