# Reading the headers of the standard library takes about half the time of a build, so the large
# targets read them once. Builds without this find headers that a file forgets to include.
set(MOX_COMMON_HEADERS
  <algorithm> <array> <charconv> <cmath> <cstdint> <cstring> <filesystem> <functional> <iterator>
  <limits> <list> <map> <memory> <new> <numeric> <optional> <set> <span> <sstream> <stdexcept>
  <string> <string_view> <system_error> <tuple> <unordered_map> <unordered_set> <utility> <variant>
  <vector> <boost/noncopyable.hpp> <boost/shared_ptr.hpp> <boost/smart_ptr/make_shared.hpp>)

foreach(target mox_materials mox_core mox_host mox_editor mox_server mox_compile mox_preview mox_pictures
    mox)
  if(TARGET ${target})
    target_precompile_headers(${target} PRIVATE ${MOX_COMMON_HEADERS})
  endif()
endforeach()
foreach(target mox_test_support mox_tests mox_compile_tests mox_exhaustion_tests mox_numbers_tests
    mox_preview_tests mox_server_tests)
  if(TARGET ${target})
    target_precompile_headers(${target} PRIVATE ${MOX_COMMON_HEADERS} <gtest/gtest.h>)
  endif()
endforeach()
