/* To what the loader has bound the symbols of an object. */
#ifndef HOST_BINDINGS_H
#define HOST_BINDINGS_H

/* Calls `found` for every symbol that a relocation of the object refers to, with the address that it was bound to. Returns the
 * number of symbols. `handle` is what dlopen gave; null is the program. */
int bindings_of(void* handle, void (*found)(const char* symbol, const void* target, void* context),
                void* context);

#endif
