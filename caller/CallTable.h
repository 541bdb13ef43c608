#pragma once
// The traditional call of every number, 1 to 90 in order, as one text split
// at "," when the window opens. The spellings are the house's own and are
// shown letter for letter ("OneDozen", "Goobye Teens", "Winnie The Poo";
// 56 and 76 share "Was She Worth It").
#include <string_view>

namespace caller {

inline constexpr std::string_view kNicknameText =
    "Kellys Eye,One Little Duck,Dearie Me,Knock At The Door,Man Alive,Tom Mix,Lucky,Garden Gate,Doctors Orders,Downing Street,"
    "Legs,OneDozen,Unlucky For Some,Valentines Day,Young And Keen,Sweet,Dancing Queen,Now You Can Vote,Goobye Teens,Blind 20,"
    "Key To The Door,Two Little Ducks,A Duck And A Flea,Two Dozen,Duck And Dive,Half A Crown,A Duck And A Crutch,Over Weight,In Your Prime,Blind 30,"
    "Get Up And Run,Buckle My Shoe,Dirty Knees,Ask For More,Jump And Jive,Three Dozen,A Flea In Heaven,Christmas Cake,All The Steps,Blind 40,"
    "Lifes Begun,Winnie The Poo,Down On Your Knees,All The Fours,Halfway There,Up To Tricks,Four And Seven,Four Dozen,PC,Blind 50,"
    "Tweak Of The Thumb,Weeks In A Year,Stuck In A Tree,Clean The Floor,All The Fives,Was She Worth It,Heinz Varieties,Make Them Wait,The Brighton Line,Blind 60,"
    "Bakers Bun,Tickety Boo,Tickle Me,Red Raw,Old Age Pension,Clickety Click,Made In Heaven,Saving Grace,Any Way Up,Blind 70,"
    "Bang On The Drum,A Crutch And A Duck,Queen B,Candy Store,Strive And Strive,Was She Worth It,All The Sevens,Heavens Gate,One More Time,Blind 80,"
    "Stop And Run,Straight On Through,Time For Tea,Seven Dozen,Staying Alive,Between The Sticks,Torquay In Devon,Two Fat Ladies,Nearly There,Top Of The Shop";

}  // namespace caller
