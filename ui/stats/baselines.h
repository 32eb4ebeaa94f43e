// The baselines of counters. Clear sets them, and those from before the last Clear can be brought back once.
#pragma once

#include <utility>

// Something on a page that counts from baselines: fields, or the rows of a table.
class Counting {
  public:
    virtual ~Counting() = default;

    // A Clear may take several refreshes, and in the end have changed nothing.
    virtual void beginClear() = 0;
    virtual bool changed() const = 0;  // since beginClear()
    virtual void endClear() = 0;       // what was there at beginClear() can be brought back

    virtual void undoClear() = 0;

    // Counters start from what the driver counts, as if nothing had been cleared.
    virtual void countAnew() = 0;
};

template <class Set> class Baselines : public Counting {
  public:
    void beginClear() override { begun_ = baselines_; }
    bool changed() const override { return baselines_ != begun_; }
    void endClear() override { before_ = std::exchange(begun_, {}); }
    void undoClear() override {
        baselines_ = std::exchange(before_, {});
        rewrite();
    }
    void countAnew() override {
        baselines_ = before_ = begun_ = {};
        rewrite();
    }

  protected:
    virtual void rewrite() {}  // the next refresh writes all counters, be the replies the same

    Set baselines_{};

  private:
    Set before_{};  // the last Clear
    Set begun_{};   // the Clear that is under way
};
