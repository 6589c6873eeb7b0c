"""Drives the program through its accessibility tree, as an assistive tool of a person would.

The tests run inside scripts/in-virtual-display.sh: a display, a session bus and a runtime folder of their own.
"""
