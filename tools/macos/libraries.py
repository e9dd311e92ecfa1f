"""What the program links on a Mac and this machine only has for itself: one row each."""
from __future__ import annotations

from dataclasses import dataclass

@dataclass(frozen=True)
class Library:
    """headers: links that the private include folder gets, as globs below the system's include folders; none for a
    framework, whose functions are declared in include/. symbols: how the names begin that it defines, as a
    regular expression. place: what the program will look for at its start."""

    name: str
    symbols: str
    place: str
    headers: tuple[str, ...] = ()


# Of a mangled name: what may stand before the outermost namespace.
CPP = r"__Z(?:N[VK]?|T[ISV]N[K]?|GVNK?)?"

LIBRARIES = (
    Library("fmt", CPP + "3fmt", "/opt/homebrew/opt/fmt/lib/libfmt.9.dylib", ("fmt",)),
    Library("simdjson", CPP + "8simdjson", "/opt/homebrew/opt/simdjson/lib/libsimdjson.dylib", ("simdjson.h",)),
    Library("nlohmann_json", r"(?!)", "", ("nlohmann",)),
    Library("icu", CPP + r"\d+icu_\d+|_u\w+_\d+$", "/opt/homebrew/opt/icu4c/lib/libicuuc.dylib", ("unicode",)),
    Library("plist", "_plist_", "/opt/homebrew/lib/libplist-2.0.dylib", ("plist",)),
    Library("curl", "_curl_", "/usr/lib/libcurl.4.dylib", ("curl",)),
    Library("openssl", r"_(?:OPENSSL|CRYPTO|EVP|BIO|CMS|PKCS7|X509|ASN1|PEM|ERR|OBJ|d2i|i2d|sk)_\w+",
            "/opt/homebrew/opt/openssl@3/lib/libcrypto.3.dylib", ("openssl",)),
    Library("CoreFoundation", r"_k?CF[A-Z]\w+|___CF\w+",
            "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation"),
    Library("Security", r"_k?Sec[A-Z]\w+", "/System/Library/Frameworks/Security.framework/Versions/A/Security"),
)

# The names under which CMake's find_package() and pkg_check_modules() ask for them are in third_party.cmake.
