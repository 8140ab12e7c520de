/// A library with nothing in it: what loading any library costs.
