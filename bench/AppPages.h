#pragma once

// Web applications of the kind people put on a wall, built with a real framework (Vue, from
// Debian's libjs-vue) and served locally: two news sites, a to-do app and a recipe site. Each page
// is an empty shell until its script has fetched its data and the framework has drawn it; a wide
// band in the page's own colour, drawn with the rest, tells a screen sample which page is in view.
#include <QByteArray>
#include <QColor>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

namespace AppPages {

inline QString vueFile()
{
    return QStringLiteral("/usr/share/javascript/vue/vue.min.js");
}

inline QByteArray vue()
{
    QFile file(vueFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QColor color(int page, int pages)
{
    return QColor::fromHsv((page * 360 / pages) % 360, 190, 200);
}

// The four applications: their name and the framework template each draws.
inline QString kindName(int kind)
{
    static const char* names[] = {"The Morning Ledger", "Things to Do", "Kitchen Notes", "City Wire"};
    return QString::fromLatin1(names[kind % 4]);
}

inline QString kindTemplate(int kind)
{
    switch (kind % 4) {
    case 1:
        return QStringLiteral(
            "<div><h1>{{name}}</h1><form @submit.prevent=\"add\"><input v-model=\"draft\"><button>Add</button></form>"
            "<ul><li v-for=\"t in items\" :class=\"{done: t.done}\"><input type=\"checkbox\" v-model=\"t.done\"> "
            "{{t.title}}</li></ul><p>{{left}} left</p><div class=\"band\"></div></div>");
    case 2:
        return QStringLiteral(
            "<div><h1>{{name}}</h1><section v-for=\"r in items\" class=\"card\"><h2>{{r.title}}</h2>"
            "<ul><li v-for=\"i in r.ingredients\">{{i}}</li></ul><p>{{r.text}}</p></section>"
            "<div class=\"band\"></div></div>");
    default:
        return QStringLiteral(
            "<div><header><h1>{{name}}</h1><nav><a v-for=\"s in sections\" href=\"#\">{{s}} </a></nav></header>"
            "<article v-for=\"a in items\" class=\"card\"><h2>{{a.title}}</h2><p>{{a.text}}</p></article>"
            "<div class=\"band\"></div></div>");
    }
}

// The data page `page` fetches: its name and sixty items.
inline QByteArray data(int page)
{
    QJsonArray items;
    for (int i = 0; i < 60; ++i)
        items.append(QJsonObject{{"title", QStringLiteral("Item %1 of page %2").arg(i).arg(page)},
                                 {"text", QStringLiteral("A paragraph of text that stands for the story. ").repeated(3)},
                                 {"done", i % 3 == 0},
                                 {"ingredients", QJsonArray{"flour", "water", "salt", "yeast"}}});
    return QJsonDocument(QJsonObject{{"name", kindName(page)},
                                     {"sections", QJsonArray{"World", "City", "Sport", "Weather"}},
                                     {"items", items},
                                     {"draft", ""}})
        .toJson(QJsonDocument::Compact);
}

// The shell of page `page` of `pages`: it loads the framework, fetches /data<page>.json and draws.
inline QByteArray shell(int page, int pages)
{
    return QStringLiteral(
               "<!doctype html><html><head><meta charset=utf-8><title>%1 %2</title><style>"
               "body{margin:0;font:16px sans-serif}.card{display:inline-block;width:200px;height:140px;"
               "margin:8px;overflow:hidden;background:#eee}.done{color:#888}"
               ".band{position:fixed;left:20%;top:30%;width:60%;height:40%;background:%3}</style>"
               "<script src=\"/vue.min.js\"></script></head><body><div id=\"app\"></div><script>"
               "fetch('/data%2.json').then(function (r) { return r.json(); }).then(function (data) {"
               "  new Vue({el: '#app', data: data, template: %4,"
               "    computed: {left: function () { return this.items.filter(function (t) { return !t.done; }).length; }},"
               "    methods: {add: function () { this.items.push({title: this.draft, done: false}); this.draft = ''; }}});"
               "});</script></body></html>")
        .arg(kindName(page))
        .arg(page)
        .arg(color(page, pages).name())
        .arg(QString::fromUtf8(QJsonDocument(QJsonArray{kindTemplate(page)}).toJson(QJsonDocument::Compact))
                 .mid(1)
                 .chopped(1)) // the template as a JavaScript string
        .toUtf8();
}

} // namespace AppPages
