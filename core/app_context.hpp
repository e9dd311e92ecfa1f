// The one mutable store of what the user has selected. It lives for the whole run; saving it is an explicit call of
// keepPreferences() by whoever changed something worth keeping.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/physical_device_info.hpp"

namespace halyard {

/// A simulator, or the Mac itself as the value whose `udid` is "local".
struct SelectedDevice {
  std::string name;
  std::string udid;
  std::string osLabel;

  bool operator==(const SelectedDevice&) const = default;
};

/// Which platforms a scheme builds for. It holds for the scheme whose name is stored beside it.
struct SchemePlatforms {
  bool iOS = false;
  bool macCatalyst = false;

  bool operator==(const SchemePlatforms&) const = default;
};

using Date = std::chrono::system_clock::time_point;

// type, name, name in the setter, default. All are used on the main thread only.
#define HALYARD_APP_CONTEXT_FIELDS(FIELD)                                                      \
  FIELD(std::string, selectedScheme, SelectedScheme, {})                                       \
  FIELD(std::string, selectedTestScheme, SelectedTestScheme, {})                               \
  FIELD(std::string, selectedTestPlan, SelectedTestPlan, {})                                   \
  FIELD(bool, selectedTestPlanIsFromScheme, SelectedTestPlanIsFromScheme, false)               \
  FIELD(std::string, selectedConfig, SelectedConfig, "Debug")                                  \
  FIELD(std::optional<SelectedDevice>, selectedDevice, SelectedDevice, {})                     \
  FIELD(std::optional<PhysicalDeviceInfo>, selectedPhysicalDevice, SelectedPhysicalDevice, {}) \
  FIELD(std::string, lastSelectedDeviceKind, LastSelectedDeviceKind, "simulator")              \
  FIELD(std::string, selectedSimSort, SelectedSimSort, "name")                                 \
  FIELD(std::string, selectedBundleID, SelectedBundleID, {})                                   \
  FIELD(std::optional<SchemePlatforms>, cachedPlatforms, CachedPlatforms, {})                  \
  FIELD(std::string, cachedPlatformsScheme, CachedPlatformsScheme, {})                         \
  FIELD(std::optional<SchemePlatforms>, cachedTestPlatforms, CachedTestPlatforms, {})          \
  FIELD(std::string, cachedTestPlatformsScheme, CachedTestPlatformsScheme, {})                 \
  FIELD(bool, parallelTestingEnabled, ParallelTestingEnabled, false)                           \
  FIELD(std::string, selectedWorkingDirectory, SelectedWorkingDirectory, {})                   \
  FIELD(std::string, selectedFileBrowserPath, SelectedFileBrowserPath, {})                     \
  FIELD(std::string, selectedProjectFilePath, SelectedProjectFilePath, {})                     \
  FIELD(std::string, selectedProjectJsonPath, SelectedProjectJsonPath, {})                     \
  FIELD(double, autoBuildIntervalHours, AutoBuildIntervalHours, 1.0)                           \
  FIELD(bool, autoBuildActive, AutoBuildActive, false)                                         \
  FIELD(std::optional<Date>, autoBuildNextFireDate, AutoBuildNextFireDate, {})                 \
  FIELD(std::optional<Date>, autoBuildLastRunDate, AutoBuildLastRunDate, {})                   \
  FIELD(std::optional<bool>, autoBuildLastRunSuccess, AutoBuildLastRunSuccess, {})             \
  FIELD(std::string, autoBuildLastLogPath, AutoBuildLastLogPath, {})                           \
  FIELD(std::vector<SelectedDevice>, autoBuildExtraDevices, AutoBuildExtraDevices, {})         \
  FIELD(std::vector<std::string>, autoBuildExtraConfigs, AutoBuildExtraConfigs, {})            \
  FIELD(int, autoBuildCleanLevel, AutoBuildCleanLevel, 0)                                      \
  FIELD(bool, autoBuildRunXcodebuildClean, AutoBuildRunXcodebuildClean, false)                 \
  FIELD(bool, autoBuildSyncPackageManagers, AutoBuildSyncPackageManagers, false)               \
  FIELD(std::vector<std::string>, autoBuildExtraSchemes, AutoBuildExtraSchemes, {})

/// A readable and writable property for each field, for code that is written against interfaces.
class AppContextProviding {
 public:
  AppContextProviding() = default;
  AppContextProviding(const AppContextProviding&) = delete;
  AppContextProviding& operator=(const AppContextProviding&) = delete;
  virtual ~AppContextProviding() = default;

#define HALYARD_FIELD(Type, name, Name, ...)          \
  [[nodiscard]] virtual const Type& name() const = 0; \
  virtual void set##Name(Type value) = 0;
  HALYARD_APP_CONTEXT_FIELDS(HALYARD_FIELD)
#undef HALYARD_FIELD

  /// Set by the interrupt signal and by reader threads, read between the steps of an action.
  [[nodiscard]] virtual bool operationAborted() const = 0;
  virtual void setOperationAborted(bool value) = 0;
};

class AppContext final : public AppContextProviding {
 public:
  static AppContext& shared();

#define HALYARD_FIELD(Type, name, Name, ...)                          \
  [[nodiscard]] const Type& name() const override { return name##_; } \
  void set##Name(Type value) override { name##_ = std::move(value); }
  HALYARD_APP_CONTEXT_FIELDS(HALYARD_FIELD)
#undef HALYARD_FIELD

  [[nodiscard]] bool operationAborted() const override { return operationAborted_.load(); }
  void setOperationAborted(bool value) override { operationAborted_.store(value); }

  /// Every field back to its default: a fresh context for a test.
  void reset();

 private:
#define HALYARD_FIELD(Type, name, Name, ...) Type name##_ = __VA_ARGS__;
  HALYARD_APP_CONTEXT_FIELDS(HALYARD_FIELD)
#undef HALYARD_FIELD
  // Atomic instead of locked: the interrupt handler writes it, and a handler may not take a lock.
  std::atomic<bool> operationAborted_ = false;
  static_assert(std::atomic<bool>::is_always_lock_free);
};

// Accessors of the shared instance, so that an action needs no context passed to it.
#define HALYARD_FIELD(Type, name, Name, ...)                        \
  inline const Type& name() { return AppContext::shared().name(); } \
  inline void set##Name(Type value) { AppContext::shared().set##Name(std::move(value)); }
HALYARD_APP_CONTEXT_FIELDS(HALYARD_FIELD)
#undef HALYARD_FIELD

inline bool operationAborted() { return AppContext::shared().operationAborted(); }
inline void setOperationAborted(bool value) { AppContext::shared().setOperationAborted(value); }

/// The shell installs its saving of the preferences at start; the rooms below it only say that there is something to
/// keep. Does nothing before that.
void installPreferencesSaver(void (*save)());
void keepPreferences();

}  // namespace halyard
