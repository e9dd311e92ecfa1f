"""defaults: values in the state by domain; a domain that is a path is a property list on disk."""

import os
import sys

from halyard_demo import dispatcher

GLOBAL = ("-g", "-globalDomain", "NSGlobalDomain", "kCFPreferencesAnyApplication")
CONVERSIONS = {"-string": str, "-int": int, "-float": float, "-bool": lambda text: text.lower() in ("yes", "true", "1")}


def run(arguments, state):
    commands = {"read": read, "write": write, "delete": delete}
    if len(arguments) < 2 or arguments[0] not in commands:
        return dispatcher.not_yet("defaults", arguments)
    domain = "-g" if arguments[1] in GLOBAL else arguments[1]
    return commands[arguments[0]](domain, arguments[2:], state)


def read(domain, keys, state):
    values = contents(domain, state)
    if values is None:
        return failed("Domain %s does not exist" % domain)
    if not keys:
        print(shown(values))
        return 0
    if keys[0] not in values:
        name = "kCFPreferencesAnyApplication" if domain == "-g" else domain
        return failed("The domain/default pair of (%s, %s) does not exist" % (name, keys[0]))
    print(shown(values[keys[0]]))
    return 0


def contents(domain, state):
    if domain.startswith("/"):
        return property_list(domain)
    values = dict(state.read()["defaults"].get(domain, {}))
    if domain == "-g" and state.settings.get("appearance") == "dark":
        values.setdefault("AppleInterfaceStyle", "Dark")
    return values if values or domain == "-g" else None


def property_list(path):
    import plistlib  # dear to load

    for candidate in (path, path + ".plist"):
        if os.path.isfile(candidate):
            with open(candidate, "rb") as file:
                return plistlib.load(file)
    return None


def write(domain, words, state):
    if len(words) < 2 or domain.startswith("/"):
        return dispatcher.not_yet("defaults", ["write", domain] + words)
    key = words[0]
    if words[1] == "-array":
        value = words[2:]
    else:
        value = CONVERSIONS[words[1]](words[2]) if words[1] in CONVERSIONS else words[1]
    with state.change() as data:
        data["defaults"].setdefault(domain, {})[key] = value
    return 0


def delete(domain, keys, state):
    with state.change() as data:
        values = data["defaults"].get(domain, {})
        if keys:
            is_known = values.pop(keys[0], None) is not None
        else:
            is_known = data["defaults"].pop(domain, None) is not None
    return 0 if is_known else failed("Domain (%s) not found.\nDefaults have not been changed." % domain)


def failed(message):
    print("2025-01-15 09:30:00.000 defaults[4711:815] \n%s" % message, file=sys.stderr)
    return 1


def shown(value, indent=""):
    """As the old property-list form has it."""
    deeper = indent + "    "
    if isinstance(value, dict):
        rows = ["%s%s = %s;" % (deeper, quoted(key), shown(value[key], deeper)) for key in sorted(value)]
        return "{\n" + "".join(row + "\n" for row in rows) + indent + "}"
    if isinstance(value, (list, tuple)):
        return "(\n" + ",\n".join(deeper + shown(item, deeper) for item in value) + "\n" + indent + ")"
    if isinstance(value, bool):
        return "1" if value else "0"
    return quoted(str(value)) if indent else str(value)


def quoted(text):
    plain = text and all(character.isascii() and (character.isalnum() or character in "_./") for character in text)
    return text if plain else '"%s"' % text.replace("\\", "\\\\").replace('"', '\\"')
