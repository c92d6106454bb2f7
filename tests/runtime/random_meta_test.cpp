// Random sequences of operations on meta objects: rolling back and undoing restore the exact former state.
#include "../common/random.h"
#include "support/node_dump.h"
#include "support/trace.h"

#include <keel/exception.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>

#include <ostream>

namespace {

using namespace nodes;
using namespace quay::zero;

/// The first number chooses the operation, the others its operands.
struct Operation {
    std::uint8_t kind, a, b, c;
};

std::ostream& operator<<(std::ostream& out, Operation const& o) {
    return out << '{' << int{o.kind} << ", " << int{o.a} << ", " << int{o.b} << ", " << int{o.c} << '}';
}

class World {
public:
    void run(Operation const& o) {
        switch (o.kind % 24) {
            case 0:
                return trace_.begin();
            case 1:
            case 2:
            case 3:
                return trace_.end(o.kind % 24 != 3);
            case 4:
            case 5:
                return static_cast<void>(trace_.replay(o.kind % 24 == 5));
            case 6:
                // Makes a change, and then everything fails and is rolled back.
                return trace_.change([&] {
                    change(o);
                    change({static_cast<std::uint8_t>(o.kind + 8), o.b, o.c, o.a});
                    throw std::runtime_error("");
                });
            default:
                break;
        }
        if (!trace_.isOpen()) return trace_.change([&] { change(o); });
        try {
            change(o);
        } catch (keel::core::except::Error const&) {  // refused operations change nothing
        }
    }

private:
    template <class X>
    X pick(std::uint8_t by) const {
        std::vector<X> all;
        model_->forEachElement([&](ModelElement::Impl& e) {
            if (X const x = X::cast(ModelElement(&e))) all.push_back(x);
        });
        return all.empty() ? X() : all[by % all.size()];
    }
    template <class X>
    void create(std::u16string const& name) {
        if (model_->elementCount() < 14) X::create(model_, {})->setName(name);
    }

    void change(Operation const& o) {
        std::u16string const name(1 + o.c % 2 * 20, static_cast<char16_t>(u'a' + o.b % 4));
        auto const package = pick<meta::Package>(o.a);
        auto const type = pick<meta::Class>(o.a);
        auto const property = pick<meta::Property>(o.b);
        auto const literal = pick<meta::EnumLiteral>(o.b);
        auto const operation = pick<meta::Operation>(o.b);
        switch (o.kind % 17) {
            case 0:
                return create<meta::Package>(name);
            case 1:
                return create<meta::Class>(name);
            case 2:
                return create<meta::Property>(name);
            case 3:
                return o.c % 2 == 0 ? create<meta::Enum>(name) : create<meta::DataType>(name);
            case 4:
                return create<meta::EnumLiteral>(name);
            case 5:
                return o.c % 2 == 0 ? create<meta::Operation>(name) : create<meta::Argument>(name);
            case 6:
                if (package) pick<meta::Package>(o.b)->setParentPackage(package);
                return;
            case 7:
                if (package && pick<meta::Type>(o.b)) pick<meta::Type>(o.b)->setOwningPackage(package);
                return;
            case 8:
                if (type && property) property->setOwningType(type);
                return;
            case 9: {
                auto const parent = pick<meta::Enum>(o.a);
                if (parent && literal) literal->setParentEnum(parent);
                return;
            }
            case 10: {
                if (type && operation) operation->setOwningType(type);
                auto const argument = pick<meta::Argument>(o.c);
                if (operation && argument) argument->setOperation(operation);
                return;
            }
            case 11: {
                auto const e = pick<meta::MetaElement>(o.a);
                if (e && !meta::EnumLiteral::cast(e)) e->setName(name);  // a literal's name may be a key
                return;
            }
            case 12:
                if (!property) return;
                property->setFlags(static_cast<ValueFlags>(o.c % 3));
                property->setIndex(o.a % 4);
                property->setIsDerived(o.a % 2 == 0);
                property->setDefaultValue(o.c % 2 == 0 ? boost::optional<std::u16string>() : name);
                property->setQualifiedBy(pick<meta::Property>(o.a));
                return property->setType(pick<meta::Type>(o.c));
            case 13: {
                if (!package) return;
                auto* const uris = package->getImportedPackageURIsMutable();
                if (o.c % 4 == 0) return uris->clear();
                if (o.c % 4 == 1 && !uris->empty()) return uris->eraseAt(o.b % uris->size());
                return uris->push_back(name);
            }
            case 14:
                if (type) {
                    type->setIsAbstract(o.b % 2 == 0);
                    type->setSuperclass(pick<meta::Class>(o.c));
                    type->setScriptName(std::string(o.b % 40, 's'));
                }
                return;
            default: {
                auto const e = pick<meta::MetaElement>(o.a);
                if (e) e->destroy();
                return;
            }
        }
    }

    Model model_ = Model::create();
    Trace trace_{model_, 1000, [this] { return dumpElements(model_); }};
};

}  // namespace

namespace rc {

template <>
struct Arbitrary<Operation> {
    static Gen<Operation> arbitrary() {
        return gen::build<Operation>(gen::set(&Operation::kind, gen::inRange<std::uint8_t>(0, 240)),
                                     gen::set(&Operation::a), gen::set(&Operation::b), gen::set(&Operation::c));
    }
};

}  // namespace rc

namespace {

TEST(RandomMetaObjects, ComeBackAsTheyWere) {
    randomly::check(30 * randomly::kEffort, [](std::vector<Operation> const& operations) {
        World world;
        for (Operation const& o : operations) world.run(o);
    });
}

}  // namespace
