// For the sources of macOS alone: objects of Core Foundation, released at their end.
#pragma once

#include <memory>
#include <string_view>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>

namespace halyard {

struct CoreFoundationRelease {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// What a function with Create or Copy in its name returned. May be null.
template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, CoreFoundationRelease>;

/// Null where the text isn't UTF-8.
inline Owned<CFStringRef> coreFoundationText(std::string_view text) {
  return Owned<CFStringRef>(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                                    static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

}  // namespace halyard
