# QOR_SANITIZE=address,undefined or QOR_SANITIZE=thread builds everything with them. The first report
# ends the program.
if(QOR_SANITIZE)
    add_compile_options(-fsanitize=${QOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QOR_SANITIZE})
endif()
