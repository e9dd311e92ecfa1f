// The Secret Service of a desktop, through libsecret. Only calls that never open a dialog are made: a person may sit at
// the other end of a network, or at a screen that shows none.
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <memory>
#include <mutex>
#include <thread>

#include <libsecret/secret.h>

#include "halyard/platform/all_signals_held.hpp"
#include "halyard/platform/secret_store.hpp"

namespace halyard {

namespace {

constexpr std::chrono::seconds patience(5);  // with a service that doesn't answer

struct Unreference {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using Referenced = std::unique_ptr<Object, Unreference>;

struct FreeAttributes {
  void operator()(GHashTable* table) const { g_hash_table_unref(table); }
};
using Attributes = std::unique_ptr<GHashTable, FreeAttributes>;

struct FreeValue {
  void operator()(SecretValue* value) const { secret_value_unref(value); }
};
using Value = std::unique_ptr<SecretValue, FreeValue>;

struct FreeItems {
  void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};
using Items = std::unique_ptr<GList, FreeItems>;

/// Cancels the calls of one operation when patience ends.
class Limit {
 public:
  Limit() : cancellable_(g_cancellable_new()), watcher_([this] { watch(); }) {}
  ~Limit() {
    {
      const std::lock_guard lock(mutex_);
      isOver_ = true;
    }
    changed_.notify_one();
    watcher_.join();
  }
  Limit(const Limit&) = delete;
  Limit& operator=(const Limit&) = delete;

  [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }

 private:
  void watch() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, patience, [this] { return isOver_; })) g_cancellable_cancel(cancellable_.get());
  }

  Referenced<GCancellable> cancellable_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isOver_ = false;
  std::thread watcher_;
};

/// Takes what a call says of its failure. Which one it was shows in the status.
class Failure {
 public:
  Failure() = default;
  ~Failure() { g_clear_error(&error_); }
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;

  GError** place() {
    g_clear_error(&error_);
    return &error_;
  }
  [[nodiscard]] SecretStatus status() const {
    if (g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) return secretStoreNotAllowed;
    return error_ != nullptr ? secretStoreFailed : secretStored;
  }

 private:
  GError* error_ = nullptr;
};

const SecretSchema& schema() {
  static const SecretSchema value = [] {
    SecretSchema made{};
    made.name = "org.freedesktop.Secret.Generic";
    made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
    made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
    return made;
  }();
  return value;
}

Attributes attributesOf(const SecretName& item) {
  Attributes attributes(g_hash_table_new_full(g_str_hash, g_str_equal, nullptr, g_free));
  const auto put = [&](const char* name, std::string_view value) {
    g_hash_table_insert(attributes.get(), const_cast<char*>(name), g_strndup(value.data(), value.size()));
  };
  put("service", item.service);
  put("account", item.account);
  return attributes;
}

/// A connection to the service, as long as one operation takes. Null where none answers.
Referenced<SecretService> openService(SecretServiceFlags flags, GCancellable* cancellable) {
  const Referenced<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
  if (bus == nullptr || g_dbus_connection_is_closed(bus.get()) != FALSE) return nullptr;
  g_dbus_connection_set_exit_on_close(bus.get(), FALSE);  // else the end of the bus would be that of the program
  return Referenced<SecretService>(secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, flags, cancellable, nullptr));
}

class SecretServiceStore final : public SecretStoring {
 public:
  SecretStatus add(const SecretName& item, std::string_view value) override {
    const AllSignalsHeld held;  // the threads that libsecret starts are to get none
    const Limit limit;
    const auto service = openService(SECRET_SERVICE_OPEN_SESSION, limit.cancellable());
    if (service == nullptr) return secretStoreMissing;
    Failure failure;
    const Referenced<SecretCollection> collection(secret_collection_for_alias_sync(
        service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, limit.cancellable(), failure.place()));
    if (collection == nullptr) return failure.status() != secretStored ? failure.status() : secretStoreMissing;
    if (secret_collection_get_locked(collection.get()) != FALSE) return secretStoreNotAllowed;
    const Value kept(secret_value_new(value.data(), static_cast<gssize>(value.size()), "text/plain"));
    const Referenced<SecretItem> made(secret_item_create_sync(
        collection.get(), &schema(), attributesOf(item).get(), std::string(item.service).c_str(), kept.get(),
        SECRET_ITEM_CREATE_NONE, limit.cancellable(), failure.place()));
    return made != nullptr || failure.status() != secretStored ? failure.status() : secretStoreFailed;
  }

  std::optional<std::string> find(const SecretName& item) override {
    const AllSignalsHeld held;  // the threads that libsecret starts are to get none
    const Limit limit;
    const auto service = openService(SECRET_SERVICE_OPEN_SESSION, limit.cancellable());
    if (service == nullptr) return std::nullopt;
    const Items items(secret_service_search_sync(service.get(), &schema(), attributesOf(item).get(),
                                                 SECRET_SEARCH_LOAD_SECRETS, limit.cancellable(), nullptr));
    if (items == nullptr) return std::nullopt;
    const Value value(secret_item_get_secret(SECRET_ITEM(items->data)));  // null while it is locked
    if (value == nullptr) return std::nullopt;
    gsize size = 0;
    const gchar* bytes = secret_value_get(value.get(), &size);
    return std::string(bytes, size);
  }

  SecretStatus remove(const SecretName& item) override {
    const AllSignalsHeld held;  // the threads that libsecret starts are to get none
    const Limit limit;
    const auto service = openService(SECRET_SERVICE_NONE, limit.cancellable());
    if (service == nullptr) return secretStoreMissing;
    Failure failure;
    secret_service_clear_sync(service.get(), &schema(), attributesOf(item).get(), limit.cancellable(), failure.place());
    return failure.status();
  }
};

}  // namespace

SecretStoring& systemSecretStore() {
  static SecretServiceStore store;
  return store;
}

}  // namespace halyard
