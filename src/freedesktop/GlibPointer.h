#pragma once

#include <gio/gio.h>

#include <memory>

namespace vantrel {

// Owning pointers to what GLib counts or allocates. As safe for threads as what they point to.

struct ReleaseObject {
    void operator()(void* object) const { g_object_unref(object); }
};

/// A reference to a GObject, given back at the end.
template <class T>
using ObjectPointer = std::unique_ptr<T, ReleaseObject>;

struct ReleaseError {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorPointer = std::unique_ptr<GError, ReleaseError>;

struct ReleaseVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using VariantPointer = std::unique_ptr<GVariant, ReleaseVariant>;

}  // namespace vantrel
