/// An empty library, for the cost of loading any library.
