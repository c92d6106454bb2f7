#include "frames.h"

namespace quay::zero::io {

namespace {

struct Pointer {
    std::string text;

    template <class WithKeys>
    void operator()(WithKeys const& object) {
        if (object.keys.last()) text.append("/").append(nameOf(*object.keys.last()));
    }
    void operator()(ElementsFrame const& list) {
        if (list.count > 0) text.append("/").append(std::to_string(list.count - 1));
    }
    void operator()(ValuesFrame const& values) {
        if (values.current.property != nullptr) text.append("/").append(values.current.property->name);
    }
};

}  // namespace

std::string pointerTo(std::vector<Frame> const& frames, std::string begin) {
    Pointer pointer{std::move(begin)};
    for (Frame const& frame : frames) std::visit(pointer, frame);
    return std::move(pointer.text);
}

}  // namespace quay::zero::io
