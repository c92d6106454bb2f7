// Read-only properties of the runtime's script classes, each read by a plain function.
#pragma once

#include <ordo/class.h>
#include <ordo/factory/property.h>

#include <quay/zero/model_element.h>

#include <string>
#include <string_view>
#include <utility>

namespace quay::zero::mi {

/// Reads the result of a function of an element. A text in the result may be borrowed from the element.
class FunctionGetter final : public ordo::factory::impl::PropertyGetter {
public:
    using Function = ordo::OrdoValue (*)(ModelElement::Impl&);

    FunctionGetter(std::string word, Function function) : word_(std::move(word)), function_(function) {}

    std::string typeWord() const override { return word_; }
    ordo::OrdoValue get(void* self) const override { return function_(*static_cast<ModelElement::Impl*>(self)); }

private:
    std::string word_;
    Function function_;
};

inline void addReadOnly(ordo::OrdoClass& ordoClass, std::string_view name, std::string word,
                        FunctionGetter::Function function, std::string_view description) {
    ordoClass.addProperty(std::make_unique<ordo::factory::impl::PropertyImpl>(
        name, 0U, std::make_unique<FunctionGetter>(std::move(word), function), nullptr, description));
}

}  // namespace quay::zero::mi
