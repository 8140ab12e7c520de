/// Libraries that are loaded at run time.
#pragma once

extern "C" {

void* dlopen(const char* path, int mode);
void* dlsym(void* handle, const char* symbol);
int dlclose(void* handle);

} // extern "C"
