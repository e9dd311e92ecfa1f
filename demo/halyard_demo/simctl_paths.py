"""Where a simulator keeps what is on it: below the demo's home, as the real service does below the user's."""

import os
import uuid


def device_folder(state, device):
    return os.path.join(state.home, "Library/Developer/CoreSimulator/Devices", device["udid"])


def container(state, device, kind, identifier):
    """`kind` is "Bundle/Application", "Data/Application" or "Shared/AppGroup". The same each time."""
    name = str(uuid.uuid5(uuid.NAMESPACE_URL, device["udid"] + kind + identifier)).upper()
    return os.path.join(device_folder(state, device), "data/Containers", kind, name)
