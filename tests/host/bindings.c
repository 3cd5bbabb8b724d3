#define _GNU_SOURCE
#include "bindings.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <string.h>

#ifdef __LP64__
#define SYMBOL_OF(info) ELF64_R_SYM(info)
#define TYPE_OF(info) ELF64_ST_TYPE(info)
#else
#define SYMBOL_OF(info) ELF32_R_SYM(info)
#define TYPE_OF(info) ELF32_ST_TYPE(info)
#endif

struct object {
    ElfW(Addr) base;
    const ElfW(Sym) * symbols;
    const char* names;
};

typedef void (*Found)(const char* symbol, const void* target, void* context);

static int one(const struct object* object, ElfW(Addr) offset, size_t index, ElfW(Addr) addend, Found found,
               void* context) {
    const ElfW(Sym)* const symbol = &object->symbols[index];
    if (index == 0 || TYPE_OF(symbol->st_info) == STT_TLS) return 0;
    if (symbol->st_shndx != SHN_UNDEF && symbol->st_value == offset) return 0; /* a copy, no address */
    ElfW(Addr) target;
    memcpy(&target, (const void*)(object->base + offset), sizeof target);
    if (target == 0) return 0; /* weak and nowhere */
    found(object->names + symbol->st_name, (const void*)(target - addend), context);
    return 1;
}

static int table(const struct object* object, ElfW(Addr) start, size_t size, int with_addend, Found found,
                 void* context) {
    int count = 0;
    if (with_addend) {
        const ElfW(Rela)* const entries = (const ElfW(Rela)*)start;
        for (size_t k = 0; k < size / sizeof *entries; ++k)
            count += one(object, entries[k].r_offset, SYMBOL_OF(entries[k].r_info),
                         (ElfW(Addr))entries[k].r_addend, found, context);
    } else {
        const ElfW(Rel)* const entries = (const ElfW(Rel)*)start;
        for (size_t k = 0; k < size / sizeof *entries; ++k)
            count += one(object, entries[k].r_offset, SYMBOL_OF(entries[k].r_info), 0, found, context);
    }
    return count;
}

int bindings_of(void* handle, Found found, void* context) {
    struct link_map* map = NULL;
    void* const opened = handle ? handle : dlopen(NULL, RTLD_NOW);
    if (!opened || dlinfo(opened, RTLD_DI_LINKMAP, &map) != 0) return 0;
    struct object object = {map->l_addr, NULL, NULL};
    ElfW(Addr) rel = 0, rela = 0, plt = 0;
    size_t rel_size = 0, rela_size = 0, plt_size = 0;
    int plt_with_addend = 0;
    for (const ElfW(Dyn)* entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) switch (entry->d_tag) {
            case DT_SYMTAB:
                object.symbols = (const ElfW(Sym)*)entry->d_un.d_ptr;
                break;
            case DT_STRTAB:
                object.names = (const char*)entry->d_un.d_ptr;
                break;
            case DT_REL:
                rel = entry->d_un.d_ptr;
                break;
            case DT_RELSZ:
                rel_size = entry->d_un.d_val;
                break;
            case DT_RELA:
                rela = entry->d_un.d_ptr;
                break;
            case DT_RELASZ:
                rela_size = entry->d_un.d_val;
                break;
            case DT_JMPREL:
                plt = entry->d_un.d_ptr;
                break;
            case DT_PLTRELSZ:
                plt_size = entry->d_un.d_val;
                break;
            case DT_PLTREL:
                plt_with_addend = entry->d_un.d_val == DT_RELA;
                break;
            default:
                break;
        }
    const int count = table(&object, rel, rel_size, 0, found, context) +
                      table(&object, rela, rela_size, 1, found, context) +
                      table(&object, plt, plt_size, plt_with_addend, found, context);
    if (!handle) dlclose(opened);
    return count;
}
