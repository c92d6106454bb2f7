// A shared library with nothing in it: what any load costs.
