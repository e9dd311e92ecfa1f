#include <Security/Security.h>

#include "halyard/platform/core_foundation.hpp"
#include "halyard/platform/secret_store.hpp"

namespace halyard {

namespace {

/// The words of a call: the class, the service and the account of a generic password, and what is added to them.
class Query {
 public:
  explicit Query(const SecretName& item)
      : service_(coreFoundationText(item.service)),
        account_(coreFoundationText(item.account)),
        words_(CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                         &kCFTypeDictionaryValueCallBacks)) {
    if (service_ == nullptr || account_ == nullptr || words_ == nullptr) return;
    set(kSecClass, kSecClassGenericPassword);
    set(kSecAttrService, service_.get());
    set(kSecAttrAccount, account_.get());
    isComplete_ = true;
  }

  void set(CFStringRef key, CFTypeRef value) { CFDictionarySetValue(words_.get(), key, value); }
  [[nodiscard]] bool isComplete() const { return isComplete_; }
  [[nodiscard]] CFDictionaryRef words() const { return words_.get(); }

 private:
  Owned<CFStringRef> service_;
  Owned<CFStringRef> account_;
  Owned<CFMutableDictionaryRef> words_;
  bool isComplete_ = false;
};

class Keychain final : public SecretStoring {
 public:
  SecretStatus add(const SecretName& item, std::string_view value) override {
    Query query(item);
    const Owned<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(value.data()),
                                             static_cast<CFIndex>(value.size())));
    if (!query.isComplete() || data == nullptr) return secretStoreFailed;
    query.set(kSecValueData, data.get());
    query.set(kSecAttrAccessible, kSecAttrAccessibleAfterFirstUnlock);
    return SecItemAdd(query.words(), nullptr);
  }

  std::optional<std::string> find(const SecretName& item) override {
    Query query(item);
    if (!query.isComplete()) return std::nullopt;
    query.set(kSecReturnData, kCFBooleanTrue);
    query.set(kSecMatchLimit, kSecMatchLimitOne);
    CFTypeRef found = nullptr;
    const OSStatus status = SecItemCopyMatching(query.words(), &found);
    const Owned<CFTypeRef> result(found);
    if (status != errSecSuccess || found == nullptr || CFGetTypeID(found) != CFDataGetTypeID()) return std::nullopt;
    const auto* data = static_cast<CFDataRef>(found);
    return std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
                       static_cast<std::size_t>(CFDataGetLength(data)));
  }

  SecretStatus remove(const SecretName& item) override {
    const Query query(item);
    if (!query.isComplete()) return secretStoreFailed;
    const OSStatus status = SecItemDelete(query.words());
    return status == errSecItemNotFound ? secretStored : status;
  }
};

}  // namespace

SecretStoring& systemSecretStore() {
  static Keychain keychain;
  return keychain;
}

}  // namespace halyard
