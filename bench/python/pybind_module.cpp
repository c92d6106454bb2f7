// The small class of the floor, made available to scripts by pybind11.
#include <pybind11/pybind11.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace {

class Port {
public:
    std::int32_t count() const { return count_; }
    void setCount(std::int32_t count) { count_ = count; }
    std::shared_ptr<Port> create() { return children_.emplace_back(std::make_shared<Port>()); }

private:
    std::int32_t count_ = 0;
    std::vector<std::shared_ptr<Port>> children_;
};

}  // namespace

PYBIND11_MODULE(pybind_port, module) {
    pybind11::class_<Port, std::shared_ptr<Port>>(module, "Port")
        .def(pybind11::init<>())
        .def_property("count", &Port::count, &Port::setCount)
        .def("create", &Port::create);
}
