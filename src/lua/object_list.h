#pragma once

#include "lua/value.h"

namespace vesper::lua {

// One of the tables and functions of a machine. They are counted; those that hold each other in a ring are
// left when the machine goes, and are then emptied through its list.
class ListedObject {
public:
    ListedObject(const ListedObject&) = delete;
    ListedObject& operator=(const ListedObject&) = delete;

protected:
    ListedObject() = default;
    virtual ~ListedObject() { unlink(); }

private:
    friend class ObjectList;
    virtual Value asValue() = 0;
    // Drops every reference to other values.
    virtual void releaseContent() = 0;

    void unlink() {
        previous_->next_ = next_;
        next_->previous_ = previous_;
        previous_ = next_ = this;
    }

    ListedObject* previous_ = this;
    ListedObject* next_ = this;
};

class ObjectList : private ListedObject {
public:
    ObjectList() = default;
    ~ObjectList() override { releaseAll(); }

    void add(ListedObject& object) {
        object.next_ = next_;
        object.previous_ = this;
        next_->previous_ = &object;
        next_ = &object;
    }
    void releaseAll() {
        while (next_ != this) {
            ListedObject* object = next_;
            object->unlink();
            const Value held = object->asValue();
            object->releaseContent();
        }
    }

private:
    Value asValue() override { return {}; }
    void releaseContent() override {}
};

}  // namespace vesper::lua
