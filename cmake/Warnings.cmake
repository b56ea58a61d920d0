# Warning set shared by every target of the project.
add_library(corr_warnings INTERFACE)
target_compile_options(corr_warnings INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror=return-type
  $<$<CXX_COMPILER_ID:GNU>:-Wsuggest-override>
  $<$<CXX_COMPILER_ID:Clang>:-Winconsistent-missing-override>)
if(CORR_WERROR)
  target_compile_options(corr_warnings INTERFACE -Werror)
endif()
