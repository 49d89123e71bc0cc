#include "play.h"

#include "player.h"

#include <QDir>
#include <QPixmap>

#include <vector>

namespace replay {

QJsonObject play(const Session& session, const QString& folder, const QString& pictures) {
    const QString album = QDir(pictures.isEmpty() ? folder : pictures).absolutePath();
    World world(folder);
    world.lay(session.disk);
    if (session.defaultFolder) world.setDefaultFolder(*session.defaultFolder);

    Player player(world);
    std::vector<std::pair<QString, QPixmap>> taken;
    const auto keep = [&](const QString& name, const QPixmap& picture) {
        taken.emplace_back(QStringLiteral("%1/%2-%3.png").arg(album, session.id, name), picture);
    };
    player.start(session);
    for (qsizetype i = 0; i < session.steps.size(); ++i) {
        const QString number = QString::number(i + 1);
        const bool wanted = session.pictures.contains(i + 1);
        player.onScene = nullptr;
        if (wanted)
            player.onScene = [&](const QString& name, const QPixmap& picture) {
                keep(number + "-" + name, picture);
            };
        player.step(session.steps[i].toObject());
        if (wanted) keep(number, player.picture());
    }
    if (session.pictures.contains("end") || (session.pictures.isEmpty() && !pictures.isEmpty()))
        keep("end", player.picture());
    QJsonObject outcome = player.outcome();
    QDir().mkpath(album);
    for (const auto& [path, picture] : taken) {
        if (!picture.save(path)) throw SessionError("cannot write " + path);
    }
    return outcome;
}

} // namespace replay
