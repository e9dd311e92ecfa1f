#include "halyard/testruns/result_bundle_place.hpp"

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

std::string newestResultBundleCommand() {
  return "find " + shellQuote(privateDerivedDataPath() + "/Logs/Test") +
         " -name '*.xcresult' 2>/dev/null | sort | tail -1";
}

std::string newestBundle() { return std::string(trimmed(run(newestResultBundleCommand()))); }

}  // namespace halyard
