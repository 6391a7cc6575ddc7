#pragma once

#include "core/DbItem.h"
#include "core/XmlTag.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <memory>

// The application's own small reader for simple, regular XML files (the
// table column configurations and the version-1 database import): it walks
// the bytes once, keeps a nesting depth, and hands out the leaf elements at
// depth 4 one at a time as DbItems. It knows nothing of attributes, comments
// or declarations: every tag without a "/" is an opening tag and deepens the
// walk, every tag with a "/" (self-closing ones too) is a closing tag.
//
// Use: construct, initWithFilePath() (or initWithData()), then getItem()
// until it answers nullptr. A parser reads one input once.
//
// Limits: a tag text of up to kMaxTagBytes bytes and a value of up to
// kMaxValueBytes bytes are read; a longer one stops the walk, and from then
// on getTag(), getData() and getItem() answer none (stopped() is true).
class Parser
{
public:
    static constexpr int kMaxTagBytes = 32;
    static constexpr int kMaxValueBytes = 10000;

    Parser() = default;

    // Expands a leading "~" ("~" alone or "~/...") to QDir::homePath(), reads
    // the whole file (missing or unreadable: no bytes), logs "<n> bytes read"
    // and sets the depth to 0 (see initWithData).
    void initWithFilePath(const QString &path);
    // Takes the bytes to walk and sets the depth to 0. Logs nothing. The read
    // position is not reset (a parser reads one input once). Only the first
    // 2^31 - 1 bytes are ever read.
    void initWithData(const QByteArray &data);

    // The number of bytes of the input.
    quint32 length() const { return m_l; }

    // Reads the next byte into currentByte() and answers 1, or answers 0 at
    // the end of the input and changes nothing.
    int getNextByte();

    // The next tag, or nullptr at the end of the input or when the walk has
    // stopped. Unless alreadyAtOpeningBracket, bytes are first skipped up to
    // a "<"; the tag then runs to the next ">". Its text is every byte in
    // between except "/", decoded as Latin-1 (the platform's 8-bit encoding);
    // a "/" anywhere makes it a closing tag. A text over kMaxTagBytes bytes
    // stops the walk.
    std::unique_ptr<XmlTag> getTag(bool alreadyAtOpeningBracket);

    // The text from after the current byte up to the next "<" (which becomes
    // the current byte): 7-bit ASCII only, line feeds and carriage returns
    // trimmed at both ends, then the first "&amp;", the first "&lt;" and the
    // first "&gt;" undone in that order. A null string means none: the end of
    // the input came first, a byte was not ASCII, or the value was over
    // kMaxValueBytes bytes (which stops the walk). An empty value is "", not null.
    QString getData();

    // The next leaf element, or nullptr when the input is finished, the
    // outermost element has closed, a value could not be read, or the walk
    // has stopped. Callers stop at the first nullptr. (After a value could
    // not be read the depth stays 4 and every later call answers nullptr;
    // after the outermost element closed, a later call would walk on.)
    std::unique_ptr<DbItem> getItem();

    // Read-only views of the walk's state, for tests and diagnostics.
    bool stopped() const { return m_stopped; }
    qint32 indent() const { return m_indent; }
    qint32 counter() const { return m_counter; }
    uchar currentByte() const { return m_aBuffer; }
    QString content() const { return m_content; }

private:
    QByteArray m_data;
    QString m_grandParent;
    QString m_parent;
    QString m_content;
    uchar m_aBuffer = 0;
    quint32 m_l = 0;
    qint32 m_indent = 0;
    qint32 m_counter = 0;
    // Set when a tag or value exceeded its limit; never cleared.
    bool m_stopped = false;
};
