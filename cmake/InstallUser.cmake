# Puts FILE where the hosts of the user who runs this look for plug-ins.
file(INSTALL "${FILE}" DESTINATION "$ENV{HOME}/.clap")
