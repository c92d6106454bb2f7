#include "floor.h"

#include <bit>
#include <cstring>

namespace hand {

void Log::undo(std::size_t from) {
    while (entries.size() > from) {
        Entry const& e = entries.back();
        switch (e.kind) {
            case Entry::Kind::Word:
                std::memcpy(e.where, &e.old, 8);
                break;
            case Entry::Kind::HalfWord:
                std::memcpy(e.where, &e.old, 4);
                break;
            case Entry::Kind::Text:
                static_cast<std::u16string*>(e.where)->swap(texts.back());
                texts.pop_back();
                break;
            case Entry::Kind::Made: {
                e.operations->leave(e.where);
                e.operations->end(e.where);
                break;
            }
            case Entry::Kind::Gone:
                e.operations->comeBack(e.where, e.position);
                break;
        }
        entries.pop_back();
    }
}

void Log::forget() {
    if (hasGone) {
        for (Entry const& e : entries) {
            if (e.kind == Entry::Kind::Gone) e.operations->end(e.where);
        }
        hasGone = false;
    }
    entries.clear();
    texts.clear();
}

Store::~Store() {
    for (Log& log : ring_) log.forget();
    log_.forget();
}

void Store::commit() {
    marks_.pop_back();
    if (!marks_.empty()) return;
    if (!ring_.empty()) {
        std::swap(ring_[next_], log_);
        if (++next_ == ring_.size()) next_ = 0;
        if (kept_ < ring_.size()) ++kept_;
    }
    log_.forget();
}

void Store::rollback() {
    log_.undo(marks_.back());
    marks_.pop_back();
}

bool Store::undo() {
    if (kept_ == 0) return false;
    next_ = (next_ == 0 ? ring_.size() : next_) - 1;
    --kept_;
    ring_[next_].undo(0);
    return true;
}

void Small::setFirst(double value) {
    if (first == value) return;
    if (store->open()) {
        store->log().entries.emplace_back(Entry::Kind::Word, &first, std::bit_cast<std::uint64_t>(first));
    }
    first = value;
}

void Small::setSecond(double value) {
    if (second == value) return;
    if (store->open()) {
        store->log().entries.emplace_back(Entry::Kind::Word, &second, std::bit_cast<std::uint64_t>(second));
    }
    second = value;
}

void Note::setText(std::u16string const& value) {
    if (text == value) return;
    if (store->open()) {
        store->log().entries.emplace_back(Entry::Kind::Text, &text, 0);
        store->log().texts.push_back(std::move(text));
    }
    text = value;
}

}  // namespace hand
