"""The state before the first call: the machine, its simulators and its devices."""

RUNTIME_PREFIX = "com.apple.CoreSimulator.SimRuntime."
DEVICE_TYPE_PREFIX = "com.apple.CoreSimulator.SimDeviceType."

DEVICE_TYPES = (
    # name, identifier's end, product family
    ("iPhone 15", "iPhone-15", "iPhone"),
    ("iPhone 16", "iPhone-16", "iPhone"),
    ("iPhone 16 Pro", "iPhone-16-Pro", "iPhone"),
    ("iPad mini (A17 Pro)", "iPad-mini-A17-Pro", "iPad"),
    ("iPad Pro 11-inch (M4)", "iPad-Pro-11-inch-M4-8GB", "iPad"),
    ("Apple TV 4K (3rd generation)", "Apple-TV-4K-3rd-generation-4K", "Apple TV"),
    ("Apple Watch Series 10 (42mm)", "Apple-Watch-Series-10-42mm", "Apple Watch"),
)

RUNTIMES = (
    # platform, version, build, product families, available
    ("iOS", "16.4", "20E247", ("iPhone", "iPad"), False),
    ("iOS", "17.5", "21F79", ("iPhone", "iPad"), True),
    ("iOS", "18.2", "22C150", ("iPhone", "iPad"), True),
    ("tvOS", "18.2", "22K154", ("Apple TV",), True),
    ("watchOS", "11.2", "22S99", ("Apple Watch",), True),
)

SIMULATORS = (
    # name, device type, runtime, identifier
    ("iPhone 14", "iPhone-14", "iOS-16-4", "0A3B1E52-6C1D-4D0B-9E57-2F60A1C7D401"),
    ("iPhone 15", "iPhone-15", "iOS-17-5", "1B7C9D04-52E8-4F6A-8A13-90B4C2E6F502"),
    ("iPhone 16", "iPhone-16", "iOS-18-2", "2C5D8E16-73F9-4A0B-9B24-A1C5D3F70603"),
    ("iPhone 16 Pro", "iPhone-16-Pro", "iOS-18-2", "3D6E9F27-840A-4B1C-8C35-B2D6E4081704"),
    ("iPad mini (A17 Pro)", "iPad-mini-A17-Pro", "iOS-18-2", "4E7FA038-951B-4C2D-9D46-C3E7F5192805"),
    ("iPad Pro 11-inch (M4)", "iPad-Pro-11-inch-M4-8GB", "iOS-18-2", "5F80B149-A62C-4D3E-8E57-D4F8062A3906"),
    ("Apple TV 4K (3rd generation)", "Apple-TV-4K-3rd-generation-4K", "tvOS-18-2",
     "6091C25A-B73D-4E4F-9F68-E509173B4A07"),
    ("Apple Watch Series 10 (42mm)", "Apple-Watch-Series-10-42mm", "watchOS-11-2",
     "71A2D36B-C84E-4F50-8079-F61A284C5B08"),
)

PHYSICAL_DEVICES = (
    {"name": "Demo iPhone", "udid": "00008130-00042D0A3C41001C", "identifier": "8E5B7A10-3C4D-4E6F-A1B2-C3D4E5F60718",
     "deviceType": "iPhone", "marketingName": "iPhone 15 Pro", "productType": "iPhone16,1", "platform": "iOS",
     "osVersion": "18.2", "osBuild": "22C152", "transport": "wired", "tunnel": "connected"},
    {"name": "Demo iPad", "udid": "00008112-001A34E20E83401E", "identifier": "9F6C8B21-4D5E-4F70-B2C3-D4E5F6071829",
     "deviceType": "iPad", "marketingName": "iPad Air 11-inch (M2)", "productType": "iPad14,8", "platform": "iOS",
     "osVersion": "17.7", "osBuild": "21H16", "transport": "localNetwork", "tunnel": "disconnected"},
)


def simulator(name, device_type, runtime, udid):
    return {"name": name, "udid": udid, "deviceType": DEVICE_TYPE_PREFIX + device_type,
            "runtime": RUNTIME_PREFIX + runtime, "state": "Shutdown"}


def state():
    return {
        "developerDirectory": "/Applications/Xcode.app/Contents/Developer",
        "defaults": {},
        "simulators": [simulator(*row) for row in SIMULATORS],
        "runtimes": [{"platform": platform, "version": version, "build": build, "families": list(families),
                      "available": available} for platform, version, build, families, available in RUNTIMES],
        "devices": [dict(device) for device in PHYSICAL_DEVICES],
    }
