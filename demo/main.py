"""Runs one call of a demo tool: main.py <tool> [arguments]."""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from halyard_demo import dispatcher  # noqa: E402

sys.exit(dispatcher.main(sys.argv[1], sys.argv[2:]))
