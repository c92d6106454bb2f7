// What can be done to a model of nodes, drawn at random.
#pragma once

#include <rapidcheck.h>

#include <cstdint>
#include <ostream>

namespace nodes {

enum class Kind : std::uint8_t {
    Create,
    CreateSpecial,
    CreateUnderUsedId,
    CreateFailing,
    Destroy,
    DestroyFailing,
    SetText,
    SetNumber,
    SetCount,
    SetRank,
    SetBox,
    SetNote,
    PushNumber,
    InsertNumber,
    EraseNumber,
    ReplaceNumber,
    AssignNumbers,
    ClearNumbers,
    InsertTag,
    EraseTag,
    ClearTags,
    AddChild,
    InsertChild,
    ReplaceChild,
    EraseChild,
    RemoveChild,
    ClearChildren,
    InsertKeyed,
    RemoveKeyed,
    ClearKeyed,
    PutBack,
    Begin,
    BeginSystem,
    Commit,
    Rollback,
    CommitOuter,
    RollbackOuter,
    Undo,
    Redo,
    Limit,
    Find,
    Hold,
    LetGo
};

struct Operation {
    Kind kind;
    std::uint8_t a;
    std::uint8_t b;
    std::uint8_t c;
};

inline std::ostream& operator<<(std::ostream& out, Operation const& o) {
    static char const* const names[] = {"Create",        "CreateSpecial", "CreateUnderUsedId",
                                        "CreateFailing", "Destroy",       "DestroyFailing",
                                        "SetText",       "SetNumber",     "SetCount",
                                        "SetRank",       "SetBox",        "SetNote",
                                        "PushNumber",    "InsertNumber",  "EraseNumber",
                                        "ReplaceNumber", "AssignNumbers", "ClearNumbers",
                                        "InsertTag",     "EraseTag",      "ClearTags",
                                        "AddChild",      "InsertChild",   "ReplaceChild",
                                        "EraseChild",    "RemoveChild",   "ClearChildren",
                                        "InsertKeyed",   "RemoveKeyed",   "ClearKeyed",
                                        "PutBack",       "Begin",         "BeginSystem",
                                        "Commit",        "Rollback",      "CommitOuter",
                                        "RollbackOuter", "Undo",          "Redo",
                                        "Limit",         "Find",          "Hold",
                                        "LetGo"};
    return out << names[static_cast<int>(o.kind)] << "(" << int{o.a} << ", " << int{o.b} << ", " << int{o.c} << ")";
}

}  // namespace nodes

namespace rc {

template <>
struct Arbitrary<nodes::Operation> {
    static Gen<nodes::Operation> arbitrary() {
        using K = nodes::Kind;
        return gen::build<nodes::Operation>(
            gen::set(&nodes::Operation::kind,
                     gen::weightedElement<K>({{6, K::Create},        {3, K::CreateSpecial}, {2, K::CreateUnderUsedId},
                                              {1, K::CreateFailing}, {3, K::Destroy},       {2, K::DestroyFailing},
                                              {3, K::SetText},       {3, K::SetNumber},     {3, K::SetCount},
                                              {3, K::SetRank},       {3, K::SetBox},        {1, K::SetNote},
                                              {3, K::PushNumber},    {2, K::InsertNumber},  {2, K::EraseNumber},
                                              {1, K::ReplaceNumber}, {1, K::AssignNumbers}, {1, K::ClearNumbers},
                                              {3, K::InsertTag},     {2, K::EraseTag},      {1, K::ClearTags},
                                              {8, K::AddChild},      {4, K::InsertChild},   {4, K::ReplaceChild},
                                              {3, K::EraseChild},    {3, K::RemoveChild},   {2, K::ClearChildren},
                                              {10, K::InsertKeyed},  {4, K::RemoveKeyed},   {2, K::ClearKeyed},
                                              {4, K::PutBack},       {10, K::Begin},        {1, K::BeginSystem},
                                              {6, K::Commit},        {3, K::Rollback},      {1, K::CommitOuter},
                                              {1, K::RollbackOuter}, {6, K::Undo},          {4, K::Redo},
                                              {1, K::Limit},         {4, K::Find},          {2, K::Hold},
                                              {1, K::LetGo}})),
            gen::set(&nodes::Operation::a), gen::set(&nodes::Operation::b), gen::set(&nodes::Operation::c));
    }
};

}  // namespace rc
