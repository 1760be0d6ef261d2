// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

namespace velmora {

// What the recipient field asks of the composer: to re-read the recipients whenever they may
// have changed. The composer implements it and is the parent object of the suggestion
// controller it creates; the field finds it there, so it holds no reference of its own, and a
// field whose controller has no such parent tells nobody.
class SuggestionHost {
public:
    virtual void manageAddresses() = 0;

protected:
    ~SuggestionHost() = default;
};

} // namespace velmora
