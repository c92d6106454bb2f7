"""Turns a schema in YAML into the C++ that holds its names.

Four steps, one module each: load (text to entries), check (every mistake in one run), plan (every decision), emit
(loops and substitutes).
"""
