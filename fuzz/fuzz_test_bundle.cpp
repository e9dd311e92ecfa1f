// Any bytes as the tests of a result bundle: they are read without harm, and the record holds no test twice.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "halyard/testruns/result_bundle.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<halyard::BundleTest> tests = halyard::readBundleTests({reinterpret_cast<const char*>(data), size});
  const std::size_t count = tests.size();
  require(count <= size);
  halyard::TestRunData record;
  halyard::addBundleTests(std::move(tests), record);
  require(record.passed.size() + record.failed.size() <= count);
  std::size_t inSuites = 0;
  for (const halyard::SuiteResult& suite : record.suiteResults) {
    inSuites += static_cast<std::size_t>(suite.passed) + static_cast<std::size_t>(suite.failed);
  }
  require(inSuites == record.passed.size() + record.failed.size());
  return 0;
}
