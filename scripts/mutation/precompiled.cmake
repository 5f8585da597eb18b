# Included by the builds of mutants: what the libraries include of others is compiled once and not with every mutant.
cmake_language(DEFER CALL target_precompile_headers tavrin_xml PRIVATE
  <algorithm> <boost/smart_ptr/enable_shared_from_this.hpp> <boost/smart_ptr/make_shared.hpp> <functional> <memory_resource>
  <random> <set> <string> <unordered_map> <vector>)
cmake_language(DEFER CALL target_precompile_headers tavrin_driver PRIVATE
  <algorithm> <boost/smart_ptr/make_shared.hpp> <fmt/format.h> <functional> <json/reader.h> <json/value.h> <locale>
  <log4cplus/loggingmacros.h> <map> <optional> <string> <vector>)
