// Script classes outlive the library that registered them, and work again when it is loaded again.
#include <ordo/ordo.h>
#include <quay/zero/mi/meta_marshaler_registry.h>

#include <gtest/gtest.h>

#include "support/product.h"

namespace {

using ordo::OrdoClass;
using ordo::OrdoValue;
using quay::zero::mi::MetaMarshalerRegistry;

OrdoClass& recordClass(char const* name) {
    std::string const full = std::string("Varlow.ModelReference.internal.compileInfo.") + name;
    return *OrdoClass::getClass(ordo::internName(full));
}

OrdoValue get(OrdoValue const& self, char const* name) {
    auto const* const property = self.object()->getClass().findProperty(ordo::internName(name));
    return property->get(self.object()->native());
}

void useClasses() {
    OrdoValue const model = OrdoClass::getClass(ordo::internName("quay.zero.Model"))->construct({});
    OrdoValue const event = recordClass("VwtpEventData").construct(std::span(&model, 1));
    auto const* const scope = event.object()->getClass().findProperty(ordo::internName("scope"));
    scope->set(event.object()->native(), OrdoValue::bytes("Global"));
    EXPECT_EQ(get(event, "scope").toInt32(), 1);
    OrdoValue const root = recordClass("ModelRefInfoRoot").construct(std::span(&model, 1));
    ordo::MethodCall call(std::span(&root, 1));
    recordClass("ModelRefInfoRoot").findMethod(ordo::internName("createIntoInports"))->call(call);
    EXPECT_EQ(get(get(call.result(), "rateInfo"), "period").toDouble(), -1.0);
    EXPECT_EQ(get(root, "triggerType").toInt32(), 5);
    EXPECT_FALSE(recordClass("RateInfo").info().getDescription().empty());
}

TEST(ScriptClasses, OutliveTheProductAndServeItWhenItComesBack) {
    quay::zero::meta::Type former;
    for (int load = 0; load < 3; ++load) {
        {
            Product const product;
            auto const type = product::registry().getType(u"ModelRefInfoRepo.QueueType");
            EXPECT_NE(MetaMarshalerRegistry::getInstance().findPropertyMarshaler(type), nullptr);
            product.function<void()>("ZLInitialize_vw_modelref_info")();
            useClasses();
            former = type;
        }
        EXPECT_FALSE(Product::isMapped());
        EXPECT_EQ(MetaMarshalerRegistry::getInstance().findPropertyMarshaler(former), nullptr);
        EXPECT_EQ(recordClass("QueueType").enumerations().size(), 3u);
        EXPECT_FALSE(recordClass("ModelRefInfoRoot").info().getDescription().empty());
    }
}

}  // namespace
